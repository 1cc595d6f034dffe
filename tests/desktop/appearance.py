# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""How programs look on a desktop of the test's own: one font, one theme, one scale, whatever the machine has."""

# Of the machine's own settings none is included. Whatever is asked for comes from the package fonts-dejavu-core.
_FONTS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts/truetype/dejavu</dir>
  <cachedir>/var/cache/fontconfig</cachedir>
  <cachedir prefix="xdg">fontconfig</cachedir>
  <match target="pattern">
    <test name="family" qual="all" compare="not_eq"><string>DejaVu Sans</string></test>
    <test name="family" qual="all" compare="not_contains"><string>mono</string></test>
    <edit name="family" mode="assign" binding="strong"><string>DejaVu Sans</string></edit>
  </match>
  <match target="pattern">
    <test name="family" compare="contains"><string>mono</string></test>
    <edit name="family" mode="assign" binding="strong"><string>DejaVu Sans Mono</string></edit>
  </match>
  <match target="pattern">
    <edit name="dpi" mode="assign"><double>96</double></edit>
    <edit name="antialias" mode="assign"><bool>true</bool></edit>
    <edit name="hinting" mode="assign"><bool>true</bool></edit>
    <edit name="hintstyle" mode="assign"><const>hintslight</const></edit>
    <edit name="rgba" mode="assign"><const>none</const></edit>
  </match>
</fontconfig>
"""

_GTK = """[Settings]
gtk-theme-name=Adwaita
gtk-icon-theme-name=Adwaita
gtk-font-name=DejaVu Sans 10
gtk-xft-dpi=98304
gtk-enable-animations=false
"""


def settle(config_folder):
    """Writes the settings, and returns what programs need in their environment to go by them."""
    fonts = config_folder / "fonts.conf"
    fonts.write_text(_FONTS)
    gtk = config_folder / "gtk-3.0"
    gtk.mkdir()
    (gtk / "settings.ini").write_text(_GTK)
    return {
        "FONTCONFIG_FILE": str(fonts),
        # Its font is "Sans Serif" in 9 points, which are 12 pixels here.
        "QT_QPA_PLATFORMTHEME": "generic",
        "QT_FONT_DPI": "96",
        "QT_ENABLE_HIGHDPI_SCALING": "0",
        "QT_SCALE_FACTOR": "1",
        "GDK_SCALE": "1",
        "GDK_DPI_SCALE": "1",
    }
