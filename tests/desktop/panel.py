# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The panel's settings, written before it starts, and the colours of its surroundings."""

from screen import Rectangle

_PLUGINS = {
    "separator": '<property name="expand" type="bool" value="true"/><property name="style" type="uint" value="0"/>',
    "systray": '<property name="square-icons" type="bool" value="true"/>',
    "clock": '<property name="digital-layout" type="uint" value="3"/>'
             '<property name="digital-time-font" type="string" value="Sans 10"/>',
}

_SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="{height}"/>
      <property name="plugin-ids" type="array">{ids}</property>
    </property>
  </property>
  <property name="plugins" type="empty">{plugins}</property>
</channel>
"""

HEIGHT = 28
NARROWEST = 100
BACKGROUND = "#353535"


def _plugin(number, name):
    return f'<property name="plugin-{number}" type="string" value="{name}">{_PLUGINS[name]}</property>'


def write_settings(config_folder, plugins=("separator", "systray"), dark=True):
    """A panel along the upper edge of the screen; the plugins stand from left to right."""
    folder = config_folder / "xfce4/xfconf/xfce-perchannel-xml"
    folder.mkdir(parents=True)
    numbered = list(enumerate(plugins, 1))
    (folder / "xfce4-panel.xml").write_text(_SETTINGS.format(
        dark=str(dark).lower(), height=HEIGHT,
        ids="".join(f'<value type="int" value="{number}"/>' for number, _ in numbered),
        plugins="".join(_plugin(number, name) for number, name in numbered)))


def picture(screen):
    """What there is to see at the right end of the upper edge, as far as the narrowest panel reaches."""
    return screen.picture(Rectangle(screen.width - NARROWEST, 0, screen.width, HEIGHT))


def pictures(screen):
    """The same, and what there is at the right end of the lower edge."""
    lower = Rectangle(screen.width - NARROWEST, screen.height - HEIGHT, screen.width, screen.height)
    return picture(screen), screen.picture(lower)


def is_empty(screen, ground=None):
    """Whether nothing is to be seen there but one colour, or this one: a panel that is not painted yet has another."""
    colours = {"#%02x%02x%02x" % pixel for pixel in picture(screen).pixels()}
    return len(colours) == 1 and ground in (None, *colours)


def is_drawn(screen, colour=BACKGROUND):
    """Whether a panel of this colour is there, whatever it shows: its upper edge is."""
    edge = screen.picture(Rectangle(0, 0, screen.width, 1))
    return {"#%02x%02x%02x" % pixel for pixel in edge.pixels()} == {colour}
