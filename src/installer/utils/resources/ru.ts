<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Этот мастер поможет вам установить Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Перед началом установки рекомендуется закрыть все другие приложения. Это позволит обновить необходимые системные файлы без перезагрузки компьютера.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Нажмите $\"Далее$\", чтобы продолжить.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Удаление Orv Collection</translation>
    </message>
</context>
</TS>
