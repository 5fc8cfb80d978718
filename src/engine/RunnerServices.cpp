// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/RunnerServices.h"

#include "engine/NetworkStatsSampler.h"
#include "engine/SystemStatsSampler.h"
#include "engine/WebEngineLoader.h"
#include "model/Clock.h"

namespace corkwheel {

RunnerServices RunnerServices::shared() {
    RunnerServices services;
    services.clock = &Clock::system();
    services.systemStats = &SystemStatsSampler::shared();
    services.networkStats = &NetworkStatsSampler::shared();
    services.createWebPage = &WebEngineLoader::createPage;
    return services;
}

} // namespace corkwheel
