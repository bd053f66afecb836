<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Este assistente irá guiá-lo durante a instalação do Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Recomendamos que você feche todos os outros aplicativos antes de iniciar a instalação. Isso permitirá atualizar os arquivos de sistema necessários sem precisar reiniciar o computador.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Clique em Avançar para continuar.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Desinstalar o Orv Collection</translation>
    </message>
</context>
</TS>
