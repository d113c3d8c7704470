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
box = ",".join(f"{round(v, 3) + 0.0:.3f}" for v in (ext.extmin.x, ext.extmin.y, ext.extmax.x, ext.extmax.y))
print(f"errors={len(auditor.errors)} fixes={len(auditor.fixes)} entities={len(msp)} extents={box}")
