// Where something of a document stands once it is on paper.
#pragma once

#include "desktop/printing/printed_page.h"

namespace tarvik::desktop {

// The page, from 0, on which a place of the laid-out text stands; -1 for none.
inline int PageOf(const PrintedPage& page, double y) {
  for (int number = 0; number < page.Pages(); ++number) {
    if (y >= page.Slices()[number].top && y < page.Slices()[number].bottom) return number;
  }
  return -1;
}

}  // namespace tarvik::desktop
