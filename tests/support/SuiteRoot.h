#pragma once

#include <QString>

// A suite root folder as the wizard unpacks it, generated from the embedded
// catalogue: each product's plug-ins, configuration and settings files and
// executables in its folder (the current generation's shared below bin), the
// modules of module products with export presets inside, the shared module in
// bin/lrplugins and the Zonal Tool's files in bin/automation. Every file holds
// a short text that names it; *.cfg files hold the suite's configuration form
// with the language "en". Sample pictures lie in pictures/ (neutral ones and
// the language folders 1033, 1031 and 1041), application data in appData/.
namespace suiteRoot {

void create(const QString &root);

// The text that create() writes into the file of that name.
QByteArray contentOf(const QString &fileName);

} // namespace suiteRoot
