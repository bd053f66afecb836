<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Dieser Assistent führt Sie durch die Installation von Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Es wird empfohlen, vor dem Start des Setups alle anderen Anwendungen zu schließen. Dadurch können relevante Systemdateien aktualisiert werden, ohne dass der Computer neu gestartet werden muss.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Klicken Sie auf „Weiter“, um fortzufahren.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Orv Collection deinstallieren</translation>
    </message>
</context>
</TS>
