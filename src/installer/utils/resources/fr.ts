<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>SuiteDeployer</name>
    <message>
        <source>WELCOME_TEXT_TOP</source>
        <translation>Cet assistant va vous guider tout au long de l’installation d’Orv Collection.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT</source>
        <translation>Il est recommandé de fermer toutes les autres applications avant de lancer l’installation. Cela permettra de mettre à jour les fichiers système concernés sans devoir redémarrer votre ordinateur.</translation>
    </message>
    <message>
        <source>WELCOME_TEXT_TEXT2</source>
        <translation>Cliquez sur Suivant pour continuer.</translation>
    </message>
    <message>
        <source>UNINSTALLER_TITLE</source>
        <translation>Désinstaller Orv Collection</translation>
    </message>
</context>
</TS>
