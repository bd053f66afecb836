#include "Installer.h"

#include "GuardedFolder.h"
#include "SpecialFolders.h"
#include "logging/Log.h"

namespace {

const QString collectionFolder = QStringLiteral("Tavrin") + QStringLiteral("/") + QStringLiteral("Orv Collection");
const QString collectionFileName = QStringLiteral("OrvCollection.cfg");
const QString collectionTemplate = QStringLiteral(
    "\n"
    "                                                   <configuration>\n"
    "                                                       <group name=\"Instrumentation\">\n"
    "                                                           <key name=\"AllowSending\" type=\"bool\" value=\"%1\"/>\n"
    "                                                           <key name=\"ShowInstrumentationScreen\" type=\"bool\" value=\"%2\"/>\n"
    "                                                       </group>\n"
    "                                                       <group name=\"Update\">\n"
    "                                                            <key name=\"Version\" type=\"string\" value=\"%3\"/>\n"
    "                                                       </group>\n"
    "                                                       <group name=\"Installer\">\n"
    "                                                            <key name=\"Version\" type=\"string\" value=\"%4\"/>\n"
    "                                                       </group>\n"
    "                                                   </configuration>\n");

} // namespace

void Installer::createGlobalCollectionCfgFile(bool mixpanelEnabled, const QString &version)
{
    const QDir programData(programDataPath());
    if (!programData.exists()) {
        KELP_LOG_ERROR("Failed to find program data folder!");
        return;
    }
    // Any user may prepare folders in ProgramData, and the collection folder
    // is open to all: neither is written or opened to all through a link.
    const GuardedFolder folder(programData.absolutePath(), collectionFolder);
    const QString allowSending = mixpanelEnabled ? QStringLiteral("1") : QStringLiteral("0");
    const QString showScreen = mixpanelEnabled ? QStringLiteral("0") : QStringLiteral("1");
    // One call with all values, so that a '%' in the version is never taken for a placeholder.
    folder.writeTextFile(collectionFileName, collectionTemplate.arg(allowSending, showScreen, version, version),
                         GuardedFolder::Access::OpenToAllUsers);
}
