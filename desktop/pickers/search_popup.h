// The drop-down list under a search box's field. It closes by itself with Esc, Enter, or a click
// elsewhere, and never waits: the call returns at once.
#pragma once

#include <QPointer>

#include "desktop/office.h"
#include "forms/control.h"

class QWidget;

namespace tarvik::desktop {

// Drops the list under `anchor`, filtered by what the field holds. Enter puts the row's key into the
// field as an operator's act; Esc leaves the field as it was. The focus goes back to `anchor`.
// Gives the list, for whoever wants to close it; it deletes itself.
QPointer<QWidget> ShowSearchList(Office& office, forms::SearchBox& box, QWidget& anchor);

}  // namespace tarvik::desktop
