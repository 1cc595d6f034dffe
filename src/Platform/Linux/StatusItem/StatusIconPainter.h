// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QColor>
#include <QImage>

namespace velquarin {

//! What the item shows, said in words for a tooltip.
struct StatusWords
{
    QString headline;  //!< never empty
    QString detail;    //!< may be empty
    friend bool operator==(const StatusWords &, const StatusWords &) = default;
};

//! The words for an appearance, in the user's language.
[[nodiscard]] StatusWords statusWords(const StatusItemAppearance &appearance);

//! Whether the appearance says that the figures are being read.
[[nodiscard]] bool isSyncing(const StatusItemAppearance &appearance);

//! The colours of the status pictures. The panel's own colour is not known, so each reads on a light panel and
//! on a dark one; the number brings its ground along as a halo.
namespace statuscolor {
inline constexpr QRgb templateGrey = qRgb(0x80, 0x86, 0x8b);
inline constexpr QRgb committedOrange = qRgb(0xf5, 0x7c, 0x00);
inline constexpr QRgb number = qRgb(0xff, 0xff, 0xff);
inline constexpr QRgb haloOnGrey = qRgb(0x24, 0x27, 0x2a);
inline constexpr QRgb haloOnOrange = qRgb(0x4a, 0x20, 0x00);
}  // namespace statuscolor

//! The title as it is drawn into a picture: one to three characters, or empty. A thousand days and more are
//! counted in thousands ("1k"), since four digits cannot be read there.
[[nodiscard]] QString numberInPicture(const QString &title);

//! The symbol with the number over its foot. Shape: @p size by @p size pixels, transparent around the drawing.
//! Source: docs/decisions/0004-status-item.md
[[nodiscard]] QImage paintSquareIcon(const StatusItemAppearance &appearance, int size);

//! The symbol with the number at its right, twice as wide as high; where there is no number, the square icon.
[[nodiscard]] QImage paintWideIcon(const StatusItemAppearance &appearance, int height);

//! All pictures that a status bar is offered, smallest first.
[[nodiscard]] QList<QImage> squareIcons(const StatusItemAppearance &appearance);
[[nodiscard]] QList<QImage> wideIcons(const StatusItemAppearance &appearance);

//! Whether the colours of a picture are what they look like where it is opaque, or darker by their alpha. The
//! StatusNotifierItem protocol does not say; all hosts but one take them apart.
enum class AlphaUse { Apart, Multiplied };

//! The pixels as 32 bit each, alpha first, most significant byte first, row by row.
//! Source: StatusNotifierItem specification, "Icons"
[[nodiscard]] QByteArray pixelsInNetworkOrder(const QImage &image, AlphaUse alpha = AlphaUse::Apart);

}  // namespace velquarin
