#pragma once

#include <QString>

// The file name of the start-menu link that an executable of the suite gets,
// such as "Grainwick 3.lnk", or an empty text when the executable gets no link.
// Only one generation of each product has a link; the list is the program's
// own and is not derived from the catalogue.
QString startMenuLinkFileName(const QString &executableFileName);
