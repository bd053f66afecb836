<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>이 마법사가 Orv 컬렉션 설치 과정을 안내합니다.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>설치를 시작하기 전에 다른 모든 응용 프로그램을 닫는 것이 좋습니다. 이렇게 하면 컴퓨터를 다시 시작하지 않고도 관련 시스템 파일을 업데이트할 수 있습니다.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>계속하려면 [다음]을 클릭하십시오.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Orv 컬렉션 제거</translation>
    </message>
</context>
</TS>
