<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>TarnCommon</name>
    <message>
        <source>Collapsed; press to show the section</source>
        <translation>Replié ; appuyer pour afficher la section</translation>
    </message>
    <message>
        <source>Expanded; press to hide the section</source>
        <translation>Déplié ; appuyer pour masquer la section</translation>
    </message>
    <message>
        <source>Inspector not available for window:</source>
        <translation>Inspecteur indisponible pour la fenêtre :</translation>
    </message>
    <message>
        <source>Inspector</source>
        <translation>Inspecteur</translation>
    </message>
    <message>
        <source>The operation couldn’t be completed. (%1 error %2.)</source>
        <extracomment>%1 is the error domain, %2 the error code</extracomment>
        <translation>L’opération n’a pas pu être achevée. (erreur %1 %2.)</translation>
    </message>
    <message>
        <source>TabView</source>
        <translation>Onglets</translation>
    </message>
</context>
</TS>
