<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>此精靈將引導您完成 Orv Collection 的安裝。</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>建議您在開始安裝之前關閉所有其他應用程式。如此即可更新相關的系統檔案，而不必重新啟動電腦。</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>按一下「下一步」以繼續。</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>解除安裝 Orv Collection</translation>
    </message>
</context>
</TS>
