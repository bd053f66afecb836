<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>This wizard will guide you through the installation of Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>It is recommended that you close all other applications before starting Setup. This will make it possible to update relevant system files without having to reboot your computer.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Click Next to continue.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Uninstall Orv Collection</translation>
    </message>
</context>
</TS>
