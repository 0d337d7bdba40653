// Where the add-in's windows appear. Tool windows are owned by the host's main window (so
// they stay above it when the host is raised and go with it), tickets open centred on that
// owner and step aside from tickets already sitting there, and windows that are not opened
// centred come back where the trader last left them.
//
// UI thread only. The remembered places live in the user directory's WindowPlacement.ini
// (one group per window kind); without a user directory they are not kept.
#pragma once

#include <QPoint>
#include <QRect>
#include <QString>
#include <cstdint>
#include <vector>

class QWidget;

namespace window_placement {

// Distance between cascaded windows, in pixels, along both axes.
inline constexpr int kCascadeStep = 28;

// Takes the host's parent window handle (InitHelmsman) as the owner of the add-in's windows:
// the Qt window of this process with that native handle. 0 or a handle that names no window
// of the host leaves the windows unowned.
void adoptHostWindow(std::uint32_t handle);
// The owner adopted last (nullptr when none, or when it is gone).
QWidget* hostWindow();

// Top-left corner for a window of `size` centred on `anchor`, kept inside `area`, moved on
// by one cascade step (both axes) while another window's corner in `taken` sits within half
// a step of it. A step that would leave `area` wraps to its left or top edge.
QPoint cascadePosition(const QRect& anchor, const QSize& size, const std::vector<QPoint>& taken,
                       const QRect& area, int step = kCascadeStep);

// Moves `w` (not yet shown) centred on its owner, or on its screen without one, cascaded from
// the visible windows of the same object name.
void placeCentred(QWidget* w);

// Brings `w` back to the place its kind had when last hidden or closed, and keeps that place
// up to date from now on. Marks `w` as one of the add-in's windows. The places are kept in
// `file`, by default the user directory's WindowPlacement.ini.
void rememberPlace(QWidget* w, const QString& kind, const QString& file = {});

}  // namespace window_placement
