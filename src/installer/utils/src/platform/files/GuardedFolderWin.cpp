#include "GuardedFolder.h"

#include "FileLinks.h"
#include "FilePermissions.h"
#include "GuardedFolderLog.h"
#include "TreeRemoval.h"
#include "WindowsPath.h"
#include "logging/Log.h"

#include <QDir>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <cstring>
#include <string>
#include <vector>

class GuardedFolder::Handles
{
public:
    ~Handles()
    {
        for (HANDLE folder : folders)
            CloseHandle(folder);
    }
    std::vector<HANDLE> folders;
};

namespace {

// Held without FILE_SHARE_DELETE: nobody can rename or replace the folder
// while it is open, so that its path keeps leading to it.
HANDLE openFolder(const std::wstring &path, DWORD flags)
{
    return CreateFileW(win32Path(path).c_str(), FILE_READ_ATTRIBUTES | READ_CONTROL, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

bool isAdministrator()
{
    BYTE administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    BOOL member = FALSE;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) &&
           CheckTokenMembership(nullptr, administrators, &member) && member;
}

bool isOwnSid(PSID owner)
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return false;
    BYTE buffer[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    const bool own = GetTokenInformation(token, TokenUser, buffer, sizeof buffer, &size) &&
                     EqualSid(reinterpret_cast<TOKEN_USER *>(buffer)->User.Sid, owner);
    CloseHandle(token);
    return own;
}

QString sidText(PSID sid)
{
    LPWSTR text = nullptr;
    if (!ConvertSidToStringSidW(sid, &text))
        return QStringLiteral("unknown");
    const QString result = QString::fromWCharArray(text);
    LocalFree(text);
    return result;
}

// The system, the administrators, the installer service, or the one who runs
// this; any other owner could be a user preparing a way into the machine.
QString ownerRefusal(HANDLE folder)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(folder, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                        &descriptor) != ERROR_SUCCESS)
        return QString();
    PSID trustedInstaller = nullptr;
    ConvertStringSidToSidW(L"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464", &trustedInstaller);
    const bool trusted = IsWellKnownSid(owner, WinBuiltinAdministratorsSid) ||
                         IsWellKnownSid(owner, WinLocalSystemSid) ||
                         (trustedInstaller != nullptr && EqualSid(owner, trustedInstaller)) || isOwnSid(owner);
    const QString refusal = trusted ? QString() : QStringLiteral("it belongs to another user (%1)").arg(sidText(owner));
    if (trustedInstaller != nullptr)
        LocalFree(trustedInstaller);
    LocalFree(descriptor);
    return refusal;
}

// The handle tells on Windows. Wine opens the folder that a link of the
// prefix's leads to even so, and only the path's attributes tell there; the
// held handle keeps the path leading to the same folder meanwhile.
bool isLink(HANDLE folder, const std::wstring &path)
{
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool handleSaysLink = GetFileInformationByHandle(folder, &information) &&
                                (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
    const DWORD attributes = GetFileAttributesW(win32Path(path).c_str());
    return handleSaysLink || (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT));
}

QString refusalOf(HANDLE folder, const std::wstring &path, bool elevated)
{
    if (isLink(folder, path))
        return QStringLiteral("it is a link");
    return elevated ? ownerRefusal(folder) : QString();
}

bool isMissing(DWORD code)
{
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

std::string textFileBytes(const QString &content)
{
    // As a file opened in text mode on Windows: every line feed gets its carriage return.
    QByteArray bytes = content.toUtf8();
    bytes.replace("\n", "\r\n");
    return bytes.toStdString();
}

bool renameHandle(HANDLE file, const std::wstring &target)
{
    const std::wstring name = win32Path(target);
    std::vector<char> buffer(sizeof(FILE_RENAME_INFO) + name.size() * sizeof(wchar_t));
    auto *rename = reinterpret_cast<FILE_RENAME_INFO *>(buffer.data());
    rename->ReplaceIfExists = TRUE;
    rename->RootDirectory = nullptr;
    rename->FileNameLength = static_cast<DWORD>(name.size() * sizeof(wchar_t));
    std::memcpy(rename->FileName, name.c_str(), name.size() * sizeof(wchar_t));
    return SetFileInformationByHandle(file, FileRenameInfo, rename, static_cast<DWORD>(buffer.size())) != FALSE;
}

void discard(HANDLE file)
{
    FILE_DISPOSITION_INFO disposition = {};
    disposition.DeleteFile = TRUE;
    SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition);
}

} // namespace

GuardedFolder::GuardedFolder(const QString &base, const QString &relative, Purpose purpose)
    : handles_(std::make_unique<Handles>())
    , path_(relative.isEmpty() ? base : base + QLatin1Char('/') + relative)
    , outcome_(Outcome::Failed)
{
    const Place place = placeOf(base, relative);
    const QString &root = place.base;
    if (purpose == Purpose::Write && !QDir(root).exists())
        QDir().mkpath(root);
    // Asked first: the membership check overwrites the error that a failed open leaves.
    const bool elevated = purpose != Purpose::Delete && isAdministrator();
    std::wstring reached = root.toStdWString();
    HANDLE folder = base.contains(QChar::Null) ? INVALID_HANDLE_VALUE : openFolder(reached, 0);
    for (const QString &component : place.relative.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (folder == INVALID_HANDLE_VALUE)
            break;
        handles_->folders.push_back(folder);
        if (reached.back() != L'/' && reached.back() != L'\\')
            reached += L"\\";
        reached += component.toStdWString();
        if (purpose == Purpose::Write)
            CreateDirectoryW(win32Path(reached).c_str(), nullptr);
        folder = openFolder(reached, FILE_FLAG_OPEN_REPARSE_POINT);
        if (folder == INVALID_HANDLE_VALUE)
            break;
        const QString refusal = refusalOf(folder, reached, elevated);
        if (!refusal.isEmpty()) {
            CloseHandle(folder);
            logRefusal(QString::fromStdWString(reached).replace(QLatin1Char('\\'), QLatin1Char('/')), refusal);
            outcome_ = Outcome::Refused;
            return;
        }
    }
    if (folder == INVALID_HANDLE_VALUE) {
        outcome_ = isMissing(GetLastError()) && purpose != Purpose::Write ? Outcome::Missing : Outcome::Failed;
        if (outcome_ == Outcome::Failed)
            KELP_LOG_WARN("Failed to create directory {}", path_.toStdString());
        return;
    }
    handles_->folders.push_back(folder);
    outcome_ = Outcome::Opened;
}

GuardedFolder::~GuardedFolder() = default;

void GuardedFolder::writeTextFile(const QString &name, const QString &content, Access access) const
{
    if (outcome_ == Outcome::Refused)
        return;
    const std::wstring target = QDir::toNativeSeparators(filePath(name)).toStdWString();
    const std::wstring temporary = target + L"." + std::to_wstring(GetCurrentProcessId()) + L".new";
    const HANDLE file =
        outcome_ != Outcome::Opened
            ? INVALID_HANDLE_VALUE
            : CreateFileW(win32Path(temporary).c_str(), GENERIC_WRITE | DELETE | READ_CONTROL | WRITE_DAC, 0, nullptr,
                          CREATE_NEW, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        KELP_LOG_WARN("Failed to create text file {}", filePath(name).toStdString());
        return;
    }
    // As the file actions do, a short write on a full disk isn't looked at.
    const std::string bytes = textFileBytes(content);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    if (access == Access::OpenToAllUsers)
        grantUsersAccess(reinterpret_cast<std::intptr_t>(file), 0);
    const bool named = renameHandle(file, target);
    if (!named)
        discard(file);
    CloseHandle(file);
    if (!named) {
        KELP_LOG_WARN("Failed to create text file {}", filePath(name).toStdString());
        return;
    }
    KELP_LOG_INFO("Text file created {} with content {}", filePath(name).toStdString(), content.toStdString());
}

bool GuardedFolder::makeLink(const QString &target, const QString &name) const
{
    return outcome_ == Outcome::Opened && ::makeLink(target, filePath(name));
}

bool GuardedFolder::removeEntry(const QString &name) const
{
    return outcome_ == Outcome::Opened && removeTree(filePath(name));
}

bool GuardedFolder::removeFileEntry(const QString &name) const
{
    return outcome_ == Outcome::Opened && DeleteFileW(win32Path(filePath(name).toStdWString()).c_str());
}
