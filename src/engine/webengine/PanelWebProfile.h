// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QWebEngineProfile;

namespace corkwheel {

// The web engine profile every webpage panel shares. It keeps cookies and site storage, so
// a page stays signed in, in the application's XDG data folder, and its cache in the XDG
// cache folder, where Qt puts them for a profile with a name; and it keeps pages from
// reading local files.
namespace PanelWebProfile {

// Made on first use; lives as long as the application.
QWebEngineProfile* shared();

} // namespace PanelWebProfile

} // namespace corkwheel
