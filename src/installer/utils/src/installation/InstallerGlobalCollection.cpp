#include "Installer.h"

#include "FilePermissions.h"
#include "FileUtils.h"
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

// Users may read, write and delete the file: SE_FILE_OBJECT, "Users" by name
// (TRUSTEE_IS_NAME), GENERIC_READ | GENERIC_WRITE | DELETE, SET_ACCESS, and
// object and container inheritance.
constexpr std::int32_t fileObject = 1;
constexpr std::int32_t trusteeIsName = 1;
constexpr std::uint32_t readWriteDelete = 0xC0010000;
constexpr std::int32_t setAccess = 2;
constexpr std::uint32_t objectAndContainerInherit = 3;

} // namespace

void Installer::createGlobalCollectionCfgFile(bool mixpanelEnabled, const QString &version)
{
    const QDir programData(programDataPath());
    if (!programData.exists()) {
        KELP_LOG_ERROR("Failed to find program data folder!");
        return;
    }
    QDir folder(programData.absoluteFilePath(collectionFolder));
    fileUtils::createDir(folder);
    const QString filePath = folder.absoluteFilePath(collectionFileName);
    const QString allowSending = mixpanelEnabled ? QStringLiteral("1") : QStringLiteral("0");
    const QString showScreen = mixpanelEnabled ? QStringLiteral("0") : QStringLiteral("1");
    // One call with all values, so that a '%' in the version is never taken for a placeholder.
    fileUtils::createTextFile(QFile(filePath), collectionTemplate.arg(allowSending, showScreen, version, version));
    grantAccess(filePath.toStdWString().c_str(), fileObject, L"Users", trusteeIsName, readWriteDelete, setAccess,
                objectAndContainerInherit);
}
