// The page that every list stands in: a head, a line that says why it could not be read, the list, and what
// stands beneath it. What the list shows is its own.
#pragma once

class QLabel;
class QLayout;
class QVBoxLayout;
class QWidget;

namespace tarvik::desktop {

struct ListFrame {
  QVBoxLayout* column;  // for what stands beneath the list, over the page's whole width
  QVBoxLayout* body;    // for the list, below the head and the reason
};

// Lays an empty page out. The page owns what it is given; the reason is hidden until it says something.
ListFrame FrameOfList(QWidget& page, QLayout* head, QLabel& reason);

}  // namespace tarvik::desktop
