#pragma once

#include <cstdint>

// Adds one access entry to the access list of a named object and keeps the
// rest of that list. Its one use lets the group "Users" read, write and delete
// the global collection file:
//
//   grantAccess(path, 1 /* SE_FILE_OBJECT */, L"Users", 1 /* TRUSTEE_IS_NAME */,
//               0xC0010000 /* GENERIC_READ | GENERIC_WRITE | DELETE */, 2 /* SET_ACCESS */,
//               3 /* OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE */);
//
// Gives the Windows error code of the failing step, 0 on success, and 87
// (ERROR_INVALID_PARAMETER) for a null name. On Windows a failing step prints
// its message on standard output. On Linux the file gets mode 0666 and its
// folder mode 0777, the other arguments aren't needed, and a failure gives
// the errno value without a message.
std::uint32_t grantAccess(const wchar_t *objectName, std::int32_t objectType, const wchar_t *trustee,
                          std::int32_t trusteeForm, std::uint32_t accessRights, std::int32_t accessMode,
                          std::uint32_t inheritance);

// The same entry on an open file, so that it lands on the file that was
// written and nowhere else: the built-in group Users, named by its well-known
// identifier S-1-5-32-545 (its name differs with the system's language), may
// read, write and delete it; on Linux the file gets mode 0666 and its open
// folder mode 0777. The handles are a HANDLE on Windows and a file descriptor
// on Linux. Results and printed messages as grantAccess gives them.
std::uint32_t grantUsersAccess(std::intptr_t file, std::intptr_t folder);
