#pragma once

class QMdiArea;
class QMdiSubWindow;

namespace brackwell {

/// The numbers are the modes by which a frame's arrange operation is known.
enum class ArrangeMode { Cascade = 0, TileHorizontally = 1, TileVertically = 2, ArrangeIcons = 3 };

/// Arranges the windows of the area. Tiling makes strips of the whole width, one below the other
/// (horizontally), or columns of the whole height, side by side (vertically), the active window first.
/// Minimised windows stay so; every mode puts them into rows along the lower edge, which the others keep free
/// of the rest, and ArrangeIcons does no more.
void ArrangeWindows(QMdiArea& area, ArrangeMode mode);

/// Gives a window that is about to be shown for the first time the size in which everything in it shows, at
/// the first place of a cascade that no other window has.
void PlaceNewWindow(QMdiArea& area, QMdiSubWindow& window);

/// Makes a window the active one and, where it was minimised, as large as it was before.
void BringForward(QMdiArea& area, QMdiSubWindow& window);

}  // namespace brackwell
