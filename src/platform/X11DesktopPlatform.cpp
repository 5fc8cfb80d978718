// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/X11DesktopPlatform.h"

#include "platform/RememberedFrame.h"
#include "platform/X11CompositorWatch.h"
#include "platform/XcbReply.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainterPath>
#include <QRegion>
#include <QTransform>
#include <QWidget>
#include <QWindow>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace corkwheel {

namespace {

// Qt's xcb plugin writes _NET_WM_WINDOW_TYPE itself whenever a window's flags change; this
// window property tells it which type to write.
constexpr char kQtWindowTypeProperty[] = "_q_xcb_wm_window_type";

constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;

// Calls back whenever its window is exposed, which a freshly mapped window only is once the
// window manager has taken it in.
class ExposeWatcher : public QObject {
public:
    ExposeWatcher(QWindow* window, std::function<void()> exposed)
        : QObject(window), m_exposed(std::move(exposed)) {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Expose)
            m_exposed();
        return false;
    }

private:
    std::function<void()> m_exposed;
};

// The screen number in DISPLAY (":0.1" is screen 1), which is the one Qt connects to.
int screenNumberOfDisplay() {
    const QByteArray display = qgetenv("DISPLAY");
    const qsizetype colon = display.lastIndexOf(':');
    const qsizetype dot = display.indexOf('.', colon < 0 ? 0 : colon);
    if (colon < 0 || dot < 0)
        return 0;
    bool ok = false;
    const int number = display.mid(dot + 1).toInt(&ok);
    return ok ? number : 0;
}

xcb_window_t nativeWindow(const QWidget* window) {
    return static_cast<xcb_window_t>(window->winId());
}

} // namespace

X11DesktopPlatform::X11DesktopPlatform() {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        m_connection = x11->connection();
    if (!m_connection)
        return;
    m_compositorWatch = std::make_unique<X11CompositorWatch>(m_connection, screenNumberOfDisplay());
    qGuiApp->installNativeEventFilter(m_compositorWatch.get());
}

// The watch takes itself out of the application's event filters as it goes.
X11DesktopPlatform::~X11DesktopPlatform() = default;

std::uint32_t X11DesktopPlatform::atom(const QByteArray& name) const {
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd())
        return *known;
    const xcb_atom_t value = internAtom(m_connection, name);
    m_atoms.insert(name, value);
    return value;
}

void X11DesktopPlatform::setAtomList(std::uint32_t window, const QByteArray& property,
                                     const QList<QByteArray>& values) {
    QList<xcb_atom_t> atoms;
    for (const QByteArray& value : values)
        atoms.append(atom(value));
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_ATOM,
                        32, static_cast<uint32_t>(atoms.size()), atoms.constData());
}

void X11DesktopPlatform::preparePanelWindow(QWidget* window) {
    QtDesktopPlatform::preparePanelWindow(window);
    if (!m_connection)
        return;
    // Qt rewrites the type from its property whenever the flags change, and writes it here
    // in the same order, so both agree.
    const PanelWindowType type = panelWindowTypeFor(windowManager());
    setAtomList(nativeWindow(window), "_NET_WM_WINDOW_TYPE", type.atoms);
    window->windowHandle()->setProperty(kQtWindowTypeProperty, type.qtType);
    setReceivesMouse(window, false);
    // Window managers copy the input shape to their frame only when told of a change after
    // they took the window in; one set before that leaves the frame catching every click.
    new ExposeWatcher(window->windowHandle(), [this, window] {
        setReceivesMouse(window, !isPinned(window));
        keepAtFrame(window);
    });
}

void X11DesktopPlatform::setFrame(QWidget* window, const WindowPlace& place) {
    rememberFrame(window, place.frame);
    QtDesktopPlatform::setFrame(window, place);
}

// Some window managers move a window as they take it in: Openbox pushes a splash window
// wholly onto one monitor, so a panel lying across two would not be where it was put. Asked
// again once the window is shown, they leave it where it is asked to be.
void X11DesktopPlatform::keepAtFrame(QWidget* window) {
    const std::optional<QRect> frame = rememberedFrame(window);
    if (frame && frame->isValid() && window->geometry() != *frame)
        window->setGeometry(*frame);
}

void X11DesktopPlatform::setPinned(QWidget* window, bool pinned) {
    const bool wasPinned = isPinned(window);
    QtDesktopPlatform::setPinned(window, pinned);
    if (!m_connection)
        return;
    setReceivesMouse(window, !pinned);
    if (pinned && !wasPinned && window->isVisible())
        lowerWithinLayer(window);
}

// A window manager that keeps a kept-below window among the normal ones (KWin does so with
// docks) leaves a panel that comes down from edit mode above them; asked, it lowers it to
// the bottom, where the others lie back over it. Elsewhere the panel is at the bottom of a
// layer of its own already.
void X11DesktopPlatform::lowerWithinLayer(QWidget* window) {
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(m_connection, nativeWindow(window), XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_flush(m_connection);
}

// The running window manager: the name it gives itself, empty when none runs.
WindowManager X11DesktopPlatform::windowManager() const {
    const xcb_window_t root = rootWindow();
    const bool temporaryRules = announces(root, "_KDE_NET_WM_TEMPORARY_RULES");
    const auto windowProperty = [this](xcb_window_t window, xcb_atom_t property, xcb_atom_t type) {
        return XcbReply<xcb_get_property_reply_t>(xcb_get_property_reply(
            m_connection, xcb_get_property(m_connection, 0, window, property, type, 0, 256),
            nullptr));
    };
    const auto check = windowProperty(root, atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW);
    if (!check || check->format != 32 || xcb_get_property_value_length(check.get()) < 4)
        return {{}, temporaryRules};
    const xcb_window_t manager =
        *static_cast<const xcb_window_t*>(xcb_get_property_value(check.get()));
    const auto name = windowProperty(manager, atom("_NET_WM_NAME"), atom("UTF8_STRING"));
    if (!name || name->format != 8)
        return {{}, temporaryRules};
    return {QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(name.get())),
                              xcb_get_property_value_length(name.get())),
            temporaryRules};
}

std::uint32_t X11DesktopPlatform::rootWindow() const {
    return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

// Whether the window manager lists `hint` in _NET_SUPPORTED on the root window.
bool X11DesktopPlatform::announces(xcb_window_t root, const QByteArray& hint) const {
    const auto cookie =
        xcb_get_property(m_connection, 0, root, atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, 4096);
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return false;
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    const int count = xcb_get_property_value_length(reply.get()) / 4;
    return std::find(atoms, atoms + count, atom(hint)) != atoms + count;
}

// The input shape decides where the pointer falls through to the windows below: empty, it
// passes everywhere. Reset, it follows the window's size, which Qt's own input region for
// windows that stop being transparent does not do, so a panel enlarged in edit mode would
// stop taking the mouse beyond its old size. Window managers copy it to their frame.
void X11DesktopPlatform::setReceivesMouse(QWidget* window, bool receives) {
    const xcb_window_t id = nativeWindow(window);
    if (receives) {
        xcb_shape_mask(m_connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, id, 0, 0, XCB_NONE);
    } else {
        xcb_shape_rectangles(m_connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, id, 0, 0, 0, nullptr);
    }
    xcb_flush(m_connection);
}

// The window manager drops these when a window is withdrawn, so they are written again
// before every map. The whole state list is written, so no stale above or below state
// survives from before the window was hidden.
void X11DesktopPlatform::setDesktopWideState(QWidget* window) {
    const xcb_window_t id = nativeWindow(window);
    setAtomList(id, "_NET_WM_STATE",
                {"_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                 isPinned(window) ? "_NET_WM_STATE_BELOW" : "_NET_WM_STATE_ABOVE"});
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id, atom("_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &kAllDesktops);
}

void X11DesktopPlatform::orderFront(QWidget* window) {
    if (m_connection && !window->isVisible())
        setDesktopWideState(window);
    QtDesktopPlatform::orderFront(window);
}

bool X11DesktopPlatform::hasCompositor() const {
    return m_compositorWatch && m_compositorWatch->isActive();
}

void X11DesktopPlatform::watchCompositor(std::function<void()> changed) {
    if (m_compositorWatch)
        m_compositorWatch->setChangedCallback(std::move(changed));
}

// KWin's blur effect reads the region as x, y, width, height quadruples in device pixels;
// other compositors ignore the property.
void X11DesktopPlatform::requestBlurBehind(QWidget* window, const QPainterPath& shape) {
    if (!m_connection)
        return;
    const xcb_window_t id = nativeWindow(window);
    const xcb_atom_t property = atom("_KDE_NET_WM_BLUR_BEHIND_REGION");
    if (shape.isEmpty()) {
        xcb_delete_property(m_connection, id, property);
        return;
    }
    const qreal ratio = window->devicePixelRatioF();
    const QPainterPath devicePath = QTransform::fromScale(ratio, ratio).map(shape);
    const QRegion region(devicePath.toFillPolygon().toPolygon());
    QList<uint32_t> values;
    for (const QRect& rect : region) {
        values << static_cast<uint32_t>(rect.x()) << static_cast<uint32_t>(rect.y())
               << static_cast<uint32_t>(rect.width()) << static_cast<uint32_t>(rect.height());
    }
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<uint32_t>(values.size()), values.constData());
    xcb_flush(m_connection);
}

// KWin's blur effect announces itself with an empty property of the blur region's name on
// the root window, there while the effect is loaded.
bool X11DesktopPlatform::offersBlurBehind() const {
    if (!m_connection)
        return false;
    const auto cookie = xcb_get_property(
        m_connection, 0, rootWindow(), atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_ATOM_ANY, 0, 0);
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

void X11DesktopPlatform::setListedInTaskbar(QWidget* window, bool listed) {
    if (!m_connection)
        return;
    const QList<QByteArray> states = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"};
    if (window->isVisible())
        changeStateOfMappedWindow(window, !listed, states);
    else
        changeStateOfUnmappedWindow(window, !listed, states);
}

// The window manager owns the state of a mapped window: it is asked by a message to the
// root window, which carries at most two states.
void X11DesktopPlatform::changeStateOfMappedWindow(QWidget* window, bool add,
                                                   const QList<QByteArray>& states) {
    constexpr std::uint32_t kRemove = 0;
    constexpr std::uint32_t kAdd = 1;
    constexpr std::uint32_t kFromApplication = 1;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = nativeWindow(window);
    message.type = atom("_NET_WM_STATE");
    message.data.data32[0] = add ? kAdd : kRemove;
    message.data.data32[1] = atom(states.value(0));
    message.data.data32[2] = states.size() > 1 ? atom(states.value(1)) : 0;
    message.data.data32[3] = kFromApplication;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    xcb_send_event(m_connection, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_connection);
}

// Before mapping, the state is the window's own property; Qt merges its own states into
// it when it maps the window, so the others are kept.
void X11DesktopPlatform::changeStateOfUnmappedWindow(QWidget* window, bool add,
                                                     const QList<QByteArray>& states) {
    const xcb_window_t id = nativeWindow(window);
    const auto cookie =
        xcb_get_property(m_connection, 0, id, atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 0, 1024);
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    QList<xcb_atom_t> present;
    if (reply && reply->format == 32 && reply->type == XCB_ATOM_ATOM) {
        const auto* values = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        const int count = xcb_get_property_value_length(reply.get()) / 4;
        present = QList<xcb_atom_t>(values, values + count);
    }
    for (const QByteArray& state : states) {
        present.removeAll(atom(state));
        if (add)
            present.append(atom(state));
    }
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id, atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, static_cast<uint32_t>(present.size()),
                        present.constData());
    xcb_flush(m_connection);
}

} // namespace corkwheel
