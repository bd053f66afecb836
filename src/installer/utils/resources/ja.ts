<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>このウィザードでは、Orv Collection のインストールをご案内します。</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>セットアップを開始する前に、他のすべてのアプリケーションを終了することをお勧めします。これにより、コンピューターを再起動せずに関連するシステム ファイルを更新できるようになります。</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>続行するには [次へ] をクリックしてください。</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Orv Collection のアンインストール</translation>
    </message>
</context>
</TS>
