// Office: what every window of the program works with. Made once by main; outlives all windows.
#pragma once

class QSettings;

namespace tarvik::host {
class Anfitrion;
}

namespace tarvik::desktop {

class Reader;
class Theme;

struct Office {
  host::Anfitrion& host;
  Theme& theme;
  QSettings& settings;  // geometry, column widths, the operator's choices: a file in the base's folder
  Reader& reader;       // for what is shown beside a screen and in the lists; no key press waits for it
};

}  // namespace tarvik::desktop
