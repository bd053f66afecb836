<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Ten kreator przeprowadzi Cię przez instalację pakietu Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Przed uruchomieniem instalacji zaleca się zamknięcie wszystkich innych aplikacji. Umożliwi to zaktualizowanie odpowiednich plików systemowych bez konieczności ponownego uruchamiania komputera.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Kliknij Dalej, aby kontynuować.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Odinstaluj Orv Collection</translation>
    </message>
</context>
</TS>
