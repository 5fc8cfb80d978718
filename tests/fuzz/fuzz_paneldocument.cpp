// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "model/PanelDocument.h"

using namespace corkwheel;

// Any bytes as panels.json. A document that reads must also save, and read back from that
// save as the same panels: the store writes back whatever it loaded.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto panels = PanelDocument::decode(fuzz::inputText(data, size).toByteArray());
    if (!panels)
        return 0;
    const auto saved = PanelDocument::encode(*panels);
    fuzz::require(saved.has_value());
    fuzz::require(PanelDocument::decode(*saved) == panels);
    return 0;
}
