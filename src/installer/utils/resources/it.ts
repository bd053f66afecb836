<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Questa procedura guidata ti accompagnerà durante l’installazione di Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Prima di avviare l’installazione, si consiglia di chiudere tutte le altre applicazioni. In questo modo sarà possibile aggiornare i file di sistema interessati senza dover riavviare il computer.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Fai clic su Avanti per continuare.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Disinstalla Orv Collection</translation>
    </message>
</context>
</TS>
