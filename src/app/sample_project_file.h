// The card holder sample as a project file: the text the program's own
// project save writes for it. The checked-in resources/samples/card_holder.pwc
// is this text (`pelwright --write-sample FILE` writes it again), and it
// ships as the demo project.
#pragma once

#include <string>

// The sample's shapes carry fixed identifiers ("guid" keys) made from their
// ids, so that writing the file again gives the same bytes. The text shapes
// take their outlines from the text layout service, which must be set. The
// layer is named and the notes written in the language given ("en" or "ja").
std::string cardHolderSampleFileText(const std::string& langID = "en");

// The fixed identifier of the sample's shape with this id.
std::string cardHolderSampleGuidText(int id);
