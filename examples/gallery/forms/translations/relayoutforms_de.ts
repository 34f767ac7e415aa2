<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>FindReplacePanel</name>
    <message>
        <source>Find and Replace</source>
        <translation>Suchen und Ersetzen</translation>
    </message>
    <message>
        <source>Find:</source>
        <translation>Suchen nach:</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Zu suchender Text</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Nächster Treffer</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Vorheriger Treffer</translation>
    </message>
    <message>
        <source>Replace:</source>
        <translation>Ersetzen durch:</translation>
    </message>
    <message>
        <source>Replacement</source>
        <translation>Ersatztext</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>Alle ersetzen</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Groß-/Kleinschreibung beachten</translation>
    </message>
    <message>
        <source>Whole words</source>
        <translation>Nur ganze Wörter</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Full name:</source>
        <translation>Vollständiger Name:</translation>
    </message>
    <message>
        <source>Your name</source>
        <translation>Ihr vollständiger Name</translation>
    </message>
    <message>
        <source>E-mail:</source>
        <translation>E-Mail-Adresse:</translation>
    </message>
    <message>
        <source>name@example.org</source>
        <translation>name@beispiel.de</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Sprache der Oberfläche:</translation>
    </message>
    <message>
        <source>System default</source>
        <translation>Systemvoreinstellung</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Englisch</translation>
    </message>
    <message>
        <source>German</source>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Französisch</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Beim Programmstart</translation>
    </message>
    <message>
        <source>Restore open windows</source>
        <translation>Zuletzt geöffnete Fenster wiederherstellen</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Automatisch nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Defaults</source>
        <translation>Standardwerte</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
</context>
</TS>
