<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Este asistente le guiará durante la instalación de Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Se recomienda cerrar todas las demás aplicaciones antes de iniciar la instalación. Así se podrán actualizar los archivos del sistema pertinentes sin tener que reiniciar el equipo.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Haga clic en Siguiente para continuar.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Desinstalar Orv Collection</translation>
    </message>
</context>
</TS>
