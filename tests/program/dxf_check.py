#!/usr/bin/python3
"""Reads a DXF file as a CAD program would and prints one line: what the
auditor found and fixed, the number of entities, and the extents of the
drawing (min x, min y, max x, max y)."""
import sys

import ezdxf
from ezdxf import bbox

doc = ezdxf.readfile(sys.argv[1])
auditor = doc.audit()
msp = doc.modelspace()
ext = bbox.extents(msp)
print(f"errors={len(auditor.errors)} fixes={len(auditor.fixes)} entities={len(msp)} "
      f"extents={ext.extmin.x:.3f},{ext.extmin.y:.3f},{ext.extmax.x:.3f},{ext.extmax.y:.3f}")
