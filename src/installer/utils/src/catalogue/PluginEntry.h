#pragma once

#include <QString>

// One plug-in of the catalogue as the deployment sees it. A key that the
// catalogue leaves out gives an empty field.
struct PluginEntry
{
    QString lightroomNameWin;
    QString templateName;
    QString lrPluginFolder;
    QString lrUid;
    QString lrName;
    QString luaConfigFile;
    QString luaVarName;
};
