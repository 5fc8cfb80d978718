#include "engine/webengine/WebEnginePlugin.h"

#include "engine/webengine/WebEnginePageAdapter.h"

namespace corkwheel {

WebPage* WebEnginePlugin::createPage(QObject* parent) {
    return new WebEnginePageAdapter(parent);
}

} // namespace corkwheel
