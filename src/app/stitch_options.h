// The stitch settings that live in the options file: the corner mode and
// its angle, the pitch search's limits, whether the last hole is pulled
// onto the end, and which pitch button is down when the program starts.
#pragma once

#include "app/options.h"
#include "stitching/stitch_settings.h"

// Copies the options into the settings a row is laid with. The pitch mode
// is a start-up choice only: a later change of the options leaves the
// button the user pressed alone. Values the panel could not show (a corner
// angle outside 1..179, a corner mode the list lacks, a step count below
// zero, numbers that are not finite) are brought into range or left at
// their factory value.
void stitchSettingsFromOptions(const TPW_Options& o, TStitchSettings& s, bool atStartUp);

// What the panel changes and the options keep: the corner mode and the
// corner angle, back into the options before they are written.
void stitchSettingsToOptions(const TStitchSettings& s, TPW_Options& o);
