<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Deze wizard begeleidt u bij de installatie van Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Het wordt aanbevolen alle andere toepassingen te sluiten voordat u Setup start. Zo kunnen de betreffende systeembestanden worden bijgewerkt zonder dat u de computer opnieuw hoeft op te starten.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Klik op Volgende om door te gaan.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Orv Collection verwijderen</translation>
    </message>
</context>
</TS>
