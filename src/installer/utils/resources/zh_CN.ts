<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>此向导将引导您完成 Orv Collection 的安装。</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>建议您在启动安装程序之前关闭所有其他应用程序。这样可以更新相关的系统文件，而无需重新启动计算机。</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>单击“下一步”继续。</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>卸载 Orv Collection</translation>
    </message>
</context>
</TS>
