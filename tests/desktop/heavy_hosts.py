# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Hosts that are too large to be installed for every test run: tools/host-picture shows the item on them."""

import shutil

import panel
from desktop import Desktop
from hosts import Host, Mate, OldTray, write_keyfile
from waiting import wait_until

PYTHON = "/usr/bin/python3"

DBUSMOCK = "/usr/lib/python3/dist-packages/dbusmock"
STOOD_IN_FOR = {"logind": "org.freedesktop.login1", "upower": "org.freedesktop.UPower"}


class BareDesktop(Desktop):
    """One whose host brings its own window manager."""

    def _start_window_manager(self):
        pass


def stand_in(desktop, *templates):
    """Stands in for services of the system, on the session bus, which passes for the system's."""
    desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = desktop.bus.address
    for template in templates:
        desktop.start(template, PYTHON, "-m", "dbusmock", "--system", "--template", template)
        desktop.bus.wait_for(STOOD_IN_FOR[template])


GNOME_SETTINGS = """[org/gnome/shell]
enabled-extensions=['ubuntu-appindicators@ubuntu.com', 'appindicatorsupport@rgcjonas.gmail.com']
disable-user-extensions=false
welcome-dialog-last-shown-version='99'
favorite-apps=@as []
"""
PLAIN_BACKGROUND = """
[org/gnome/desktop/background]
picture-options='none'
primary-color='#31465c'
"""


class Gnome(Host):
    needed = {"gnome-shell": "gnome-shell", "python3-dbusmock": DBUSMOCK,
              "gnome-shell-extension-appindicator": "/usr/share/doc/gnome-shell-extension-appindicator"}
    environment = {"XDG_CURRENT_DESKTOP": "GNOME", "GSETTINGS_BACKEND": "keyfile", "LIBGL_ALWAYS_SOFTWARE": "1",
                   "XDG_SESSION_DESKTOP": "gnome"}
    desktop = BareDesktop

    def write_settings(self, desktop):
        write_keyfile(desktop, GNOME_SETTINGS + PLAIN_BACKGROUND)

    def surround(self, desktop):
        stand_in(desktop, "logind", "upower")

    def command(self, desktop):
        return "gnome-shell", "--x11"


class NestedGnomeDesktop(BareDesktop):
    """The compositor is a window that covers the screen."""
    lets_programs_place_windows = False


class GnomeOnWayland(Gnome):
    desktop = NestedGnomeDesktop
    environment = {**Gnome.environment, "XDG_SESSION_TYPE": "wayland", "MUTTER_DEBUG_DUMMY_MODE_SPECS": "1280x800"}

    def surround(self, desktop):
        super().surround(desktop)
        desktop.environment["WAYLAND_DISPLAY"] = "wayland-0"

    def command(self, desktop):
        return "gnome-shell", "--nested", "--wayland", "--wayland-display=wayland-0"


# The versions differ in the name of the service that collects items, and in nothing else that counts here.
PLASMA = "6" if shutil.which("kded6") else "5"
KDED = f"kded{PLASMA}"


class Plasma(Host):
    needed = {"plasma-desktop": "plasmashell", "kwin-x11": "kwin_x11", KDED: KDED}
    services = ("org.kde.ActivityManager", "org.kde.kglobalaccel")
    environment = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": PLASMA,
                   "QT_QUICK_BACKEND": "software", "XDG_CONFIG_DIRS": "/etc/xdg"}
    desktop = BareDesktop

    def surround(self, desktop):
        desktop.start("kwin", "kwin_x11")
        desktop.wait_for_window_manager()

    def start(self, desktop):
        desktop.start("kded", KDED)
        desktop.bus.wait_for(f"org.kde.{KDED}")
        super().start(desktop)

    def end(self, desktop):
        desktop.end("kded")
        super().end(desktop)

    def command(self, desktop):
        return "plasmashell", "--no-respawn"


class NestedPlasmaDesktop(BareDesktop):
    """The compositor is a window that covers the screen."""
    lets_programs_place_windows = False

    def _open(self):
        super()._open()
        self.environment["XDG_SESSION_TYPE"] = "wayland"


class PlasmaOnWayland(Plasma):
    needed = {"plasma-desktop": "plasmashell", "kwin-wayland": "kwin_wayland", KDED: KDED,
              "qt6-wayland": "/usr/share/doc/qt6-wayland"}
    desktop = NestedPlasmaDesktop

    def surround(self, desktop):
        socket = "wayland-0"
        screen = desktop.screen
        desktop.start("kwin", "kwin_wayland", "--no-lockscreen", "--x11-display", desktop.environment["DISPLAY"],
                      "--width", str(screen.width), "--height", str(screen.height), "--scale", "1", "--socket", socket)
        wait_until((desktop.folder / "runtime" / socket).exists, "the compositor")
        desktop.environment["WAYLAND_DISPLAY"] = socket
        desktop.environment["QT_QPA_PLATFORM"] = "wayland"


class Cinnamon(Host):
    needed = {"cinnamon": "cinnamon", "python3-dbusmock": DBUSMOCK,
              "xapp-sn-watcher": "/usr/share/dbus-1/services/org.x.StatusNotifierWatcher.service"}
    services = ("org.x.StatusNotifierWatcher",)
    environment = {"XDG_CURRENT_DESKTOP": "X-Cinnamon", "GSETTINGS_BACKEND": "keyfile", "LIBGL_ALWAYS_SOFTWARE": "1"}
    desktop = BareDesktop
    is_wide = True

    def surround(self, desktop):
        stand_in(desktop, "logind", "upower")
        desktop.bus.start_service("org.x.StatusNotifierWatcher")

    def command(self, desktop):
        return "cinnamon",


class BesideWatcher(Host):
    """One that shows what another program collects, which stays when it ends."""

    def end(self, desktop):
        desktop.end(self.process)


class Budgie(BesideWatcher):
    """The one of Debian 12 has a tray of the older kind, newer ones take items from the bus."""
    needed = {"budgie-core": "budgie-panel", "python3-dbusmock": DBUSMOCK}
    environment = {"XDG_CURRENT_DESKTOP": "Budgie:GNOME", "GSETTINGS_BACKEND": "keyfile",
                   "LIBGL_ALWAYS_SOFTWARE": "1"}
    desktop = BareDesktop
    is_on_bus = False

    def is_ready(self, desktop):
        return super().is_ready(desktop) or desktop.windows.has_tray()

    def write_settings(self, desktop):
        write_keyfile(desktop, PLAIN_BACKGROUND)

    def surround(self, desktop):
        stand_in(desktop, "logind", "upower")
        desktop.start("wm", "budgie-wm")
        desktop.wait_for_window_manager()
        desktop.start("daemon", "budgie-daemon")

    def command(self, desktop):
        return "budgie-panel",


class Indicators(BesideWatcher, Mate):
    """The Ayatana indicators, in the panel of MATE."""
    needed = {**Mate.needed, "mate-indicator-applet": "/usr/lib/mate-indicator-applet/mate-indicator-applet",
              "ayatana-indicator-application":
              "/usr/libexec/ayatana-indicator-application/ayatana-indicator-application-service"}
    services = ("org.mate.panel.applet.IndicatorAppletFactory",)
    applet = "IndicatorAppletFactory::IndicatorApplet"
    background = "#d6d6d6"

    def surround(self, desktop):
        desktop.start("indicators", self.needed["ayatana-indicator-application"])


I3_SETTINGS = """# i3 config file (v4)
font pango:DejaVu Sans 10
bar {{
    position top
    tray_padding 2
    colors {{
        background {background}
    }}
}}
"""


class I3bar(OldTray):
    needed = {"i3-wm": "i3bar"}
    desktop = BareDesktop

    def write_settings(self, desktop):
        (desktop.config / "i3").write_text(I3_SETTINGS.format(background=panel.BACKGROUND))

    def command(self, desktop):
        return "i3", "-c", str(desktop.config / "i3")


BY_NAME = {"gnome": Gnome, "gnome-wayland": GnomeOnWayland, "plasma": Plasma, "plasma-wayland": PlasmaOnWayland,
           "cinnamon": Cinnamon, "budgie": Budgie, "indicators": Indicators, "i3bar": I3bar}
