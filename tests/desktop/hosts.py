# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The real programs that show status items, each along an edge of a desktop that it can live on."""

import case
import panel
from desktop import WATCHER, Desktop
from item import tallest
from waiting import act_until, wait_until
from wayland import NestedWaylandDesktop


class Host:
    """needed    Debian packages by the sign that tells they are there; beyond what every desktop here needs
    services     names that its session bus may start by itself
    environment  what else its session has in its environment
    desktop      the kind of desktop that it lives on
    process      the name that the desktop knows its process by
    is_on_bus    whether it takes items from the session bus
    is_wide      whether it shows the number beside the flame
    ground       its colour where it shows nothing
    """
    needed = {}
    services = ()
    environment = {}
    desktop = Desktop
    process = "host"
    is_on_bus = True
    is_wide = False
    ground = panel.BACKGROUND

    def open(self, name, **options):
        """A desktop that is ready for the host, which is not there yet."""
        desktop = self.desktop(name, **options)
        desktop.environment.update(self.environment)
        for service in self.services:
            desktop.bus.allow(service)
        self.write_settings(desktop)
        return desktop

    def write_settings(self, desktop):
        pass

    def surround(self, desktop):
        """Starts what is there before the host and stays when it goes."""

    def start(self, desktop):
        """Returns when it can be seen."""
        without = panel.pictures(desktop.screen)
        desktop.start(self.process, *self.command(desktop))
        wait_until(lambda: self.is_ready(desktop) and panel.pictures(desktop.screen) != without, "the host")

    def end(self, desktop):
        desktop.end(self.process)
        wait_until(lambda: not self.is_ready(desktop) and panel.is_empty(desktop.screen), "the host has gone")

    def command(self, desktop):
        raise NotImplementedError

    def is_ready(self, desktop):
        return desktop.takes_items()

    def opened(self, desktop, act):
        """The rectangle of the menu or the dashboard that comes when act() is called, once it holds something."""
        before = desktop.windows.shown()
        return act_until(act, lambda: tallest(desktop.windows.shown() - before), "something opens",
                         state=desktop.windows.unmanaged)

    def closed(self, desktop, act):
        """Returns when what is open has gone, after act() was called."""
        before = desktop.windows.shown()
        act()
        wait_until(lambda: before - desktop.windows.shown() and desktop.windows.nobody_holds_the_pointer(),
                   "something closes", state=desktop.windows.unmanaged)


def write_keyfile(desktop, text):
    """The settings that programs of GNOME's kind find with GSETTINGS_BACKEND=keyfile."""
    folder = desktop.config / "glib-2.0" / "settings"
    folder.mkdir(parents=True)
    (folder / "keyfile").write_text(text)


class Xfce(Host):
    needed = {package: case.NEEDED[package] for package in ("xfce4-panel", "xfconf")}

    def command(self, desktop):
        return "xfce4-panel", "--disable-wm-check"


LXQT_SETTINGS = """[General]
panels=panel1

[panel1]
plugins=spacer, statusnotifier
position=Top
alignment=0
panelSize={height}
iconSize=22
width=100
width-percent=true
background-color={background}

[spacer]
type=spacer
expandable=true

[statusnotifier]
type=statusnotifier
"""


class Lxqt(Host):
    needed = {"lxqt-panel": "lxqt-panel"}
    environment = {"XDG_CURRENT_DESKTOP": "LXQt"}

    def write_settings(self, desktop):
        folder = desktop.config / "lxqt"
        folder.mkdir()
        (folder / "panel.conf").write_text(LXQT_SETTINGS.format(height=panel.HEIGHT, background=panel.BACKGROUND))

    def command(self, desktop):
        return "lxqt-panel",


MATE_SETTINGS = """[org/mate/panel/general]
toplevel-id-list=['top']
object-id-list=['items']

[org/mate/panel/toplevels/top]
expand=true
orientation='top'
size={height}
enable-animations=false

[org/mate/panel/toplevels/top/background]
type='color'
color='{background}'

[org/mate/panel/objects/items]
object-type='applet'
applet-iid='{applet}'
toplevel-id='top'
position=0
relative-to-edge='end'
panel-right-stick=true
locked=true
"""


class Mate(Host):
    needed = {"mate-panel": "mate-panel"}
    services = ("org.mate.panel.applet.NotificationAreaAppletFactory",)
    environment = {"XDG_CURRENT_DESKTOP": "MATE", "GSETTINGS_BACKEND": "keyfile"}
    applet = "NotificationAreaAppletFactory::NotificationArea"
    background = panel.BACKGROUND

    def write_settings(self, desktop):
        write_keyfile(desktop, MATE_SETTINGS.format(height=panel.HEIGHT, background=self.background,
                                                    applet=self.applet))

    def command(self, desktop):
        return "mate-panel",


class OldTray(Host):
    """One that shows small windows of other programs."""
    is_on_bus = False

    def is_ready(self, desktop):
        return desktop.windows.has_tray()


class Trayer(OldTray):
    ground = "#dcdad5"
    needed = {"trayer": "trayer"}
    process = "trayer"

    def start(self, desktop):
        desktop.start_old_tray()


TINT2_SETTINGS = """rounded = 0
border_width = 0
background_color = {background} 100
border_color = {background} 100
panel_items = FS
panel_size = 100% {height}
panel_position = top center horizontal
panel_background_id = 1
systray_icon_size = 22
"""


class Tint2(OldTray):
    needed = {"tint2": "tint2"}

    def _settings(self, desktop):
        return desktop.config / "tint2rc"

    def write_settings(self, desktop):
        self._settings(desktop).write_text(TINT2_SETTINGS.format(height=panel.HEIGHT, background=panel.BACKGROUND))

    def command(self, desktop):
        return "tint2", "-c", str(self._settings(desktop))


class OnSway(Host):
    needed = {"sway": "sway", "qt6-wayland": "/usr/share/doc/qt6-wayland"}
    desktop = NestedWaylandDesktop

    # What one program shows another cannot list there; a picture tells. What is open may change by itself, as a time
    # that counts does, so it has only closed when all looks as it did before.
    def opened(self, desktop, act):
        self._before = desktop.screen.settled(self._below_the_panel(desktop))
        return act_until(act, lambda: tallest(filter(None, [self.what_is_open(desktop)])), "something opens")

    def closed(self, desktop, act):
        act()
        wait_until(lambda: not self.what_is_open(desktop), "something closes")

    def _below_the_panel(self, desktop):
        return desktop.screen.whole._replace(top=panel.HEIGHT)

    def what_is_open(self, desktop):
        return self._before.difference(desktop.screen.settled(self._before.place))


class Swaybar(OnSway):
    """The compositor starts its bar itself, and starts none that ends: here it is started like any other."""

    def command(self, desktop):
        return "swaybar", "-b", "bar-0"


WAYBAR_SETTINGS = '{"position": "top", "height": %d, "modules-right": ["tray"], "tray": {"icon-size": 22}}\n'
WAYBAR_STYLE = "window#waybar {{ background: {background}; }}\n"


class Waybar(OnSway):
    needed = {**OnSway.needed, "waybar": "waybar"}
    is_wide = True

    def _file(self, desktop, name):
        return desktop.config / name

    def write_settings(self, desktop):
        self._file(desktop, "waybar.json").write_text(WAYBAR_SETTINGS % panel.HEIGHT)
        self._file(desktop, "waybar.css").write_text(WAYBAR_STYLE.format(background=panel.BACKGROUND))

    def command(self, desktop):
        return ("waybar", "--config", str(self._file(desktop, "waybar.json")),
                "--style", str(self._file(desktop, "waybar.css")))


BY_NAME = {"xfce": Xfce, "lxqt": Lxqt, "mate": Mate, "trayer": Trayer, "tint2": Tint2, "swaybar": Swaybar,
           "waybar": Waybar}
