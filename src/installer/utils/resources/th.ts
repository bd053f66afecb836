<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="th">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>ิซาร์ดนี้จะแนะนำคุณตลอดขั้นตอนการติดตั้งชุดเครื่องมือแต่งภาพ Orv</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>ขอแนะนำให้ปิดแอปพลิเคชันอื่นทั้งหมดก่อนเริ่มการติดตั้ง เพื่อให้สามารถอัปเดตไฟล์ระบบที่เกี่ยวข้องได้โดยไม่ต้องรีสตาร์ทคอมพิวเตอร์</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>คลิก $\"ถัดไป$\" เพื่อดำเนินการต่อ</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>ถอนการติดตั้งชุดเครื่องมือแต่งภาพ Orv</translation>
    </message>
</context>
</TS>
