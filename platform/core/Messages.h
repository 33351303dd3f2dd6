// SPDX-License-Identifier: MIT
#pragma once

// Numbers of the messages that windows send each other. The parameters are told where each is sent.

namespace tallyscope {

inline constexpr unsigned kMessageColSelect = 0xFBD;         // grid to main dialog: a heading was clicked; column
inline constexpr unsigned kMessageRowSelect = 0xFBE;         // grid to main dialog: a row number was clicked; row
inline constexpr unsigned kMessageSelectionChanged = 0xFC0;  // main dialog to active page: the selection changed by row

inline constexpr unsigned kMessageStatusText = 7035;  // to the host's main window: CString*, which it then owns

// Notification codes (CWnd::OnNotify).
inline constexpr int kNotifyCellRequest = -150;  // a virtual grid asks for one cell
inline constexpr int kNotifyClick = -2;          // the grid was clicked
inline constexpr int kNotifyDblClick = -3;       // the grid was double clicked
inline constexpr int kNotifyRClick = -5;         // the grid was clicked with the right button
inline constexpr int kNotifyApply = -202;        // a property sheet asks its pages to apply

}  // namespace tallyscope
