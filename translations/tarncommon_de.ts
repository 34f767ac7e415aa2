<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>TarnCommon</name>
    <message>
        <source>Collapsed; press to show the section</source>
        <translation>Eingeklappt; drücken, um den Abschnitt zu zeigen</translation>
    </message>
    <message>
        <source>Expanded; press to hide the section</source>
        <translation>Ausgeklappt; drücken, um den Abschnitt auszublenden</translation>
    </message>
    <message>
        <source>Inspector not available for window:</source>
        <translation>Kein Inspektor verfügbar für das Fenster:</translation>
    </message>
    <message>
        <source>Inspector</source>
        <translation>Inspektor</translation>
    </message>
    <message>
        <source>The operation couldn’t be completed. (%1 error %2.)</source>
        <extracomment>%1 is the error domain, %2 the error code</extracomment>
        <translation>Der Vorgang konnte nicht abgeschlossen werden. (%1-Fehler %2.)</translation>
    </message>
    <message>
        <source>TabView</source>
        <translation>Registerkarten</translation>
    </message>
</context>
</TS>
