<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_419">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Este asistente lo guiará durante la instalación de la Colección Orv.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Se recomienda que cierre todas las demás aplicaciones antes de iniciar la instalación. Esto permitirá actualizar los archivos del sistema correspondientes sin tener que reiniciar la computadora.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Haga clic en Siguiente para continuar.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Desinstalar la Colección Orv</translation>
    </message>
</context>
</TS>
