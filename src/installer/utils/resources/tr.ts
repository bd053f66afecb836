<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="tr">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Bu sihirbaz, Orv Collection kurulumu boyunca size yol gösterecektir.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Kuruluma başlamadan önce diğer tüm uygulamaları kapatmanız önerilir. Böylece ilgili sistem dosyaları, bilgisayarınızı yeniden başlatmanız gerekmeden güncellenebilir.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Devam etmek için İleri'ye tıklayın.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Orv Collection'ı kaldır</translation>
    </message>
</context>
</TS>
