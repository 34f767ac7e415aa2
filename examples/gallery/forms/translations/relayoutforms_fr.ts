<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>FindReplacePanel</name>
    <message>
        <source>Find and Replace</source>
        <translation>Rechercher et remplacer</translation>
    </message>
    <message>
        <source>Find:</source>
        <translation>Rechercher :</translation>
    </message>
    <message>
        <source>Text to find</source>
        <translation>Texte à rechercher</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Occurrence suivante</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Occurrence précédente</translation>
    </message>
    <message>
        <source>Replace:</source>
        <translation>Remplacer par :</translation>
    </message>
    <message>
        <source>Replacement</source>
        <translation>Texte de remplacement</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>Tout remplacer</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Respecter la casse</translation>
    </message>
    <message>
        <source>Whole words</source>
        <translation>Mots entiers uniquement</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Expression régulière</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
    <message>
        <source>Full name:</source>
        <translation>Nom complet :</translation>
    </message>
    <message>
        <source>Your name</source>
        <translation>Votre nom et prénom</translation>
    </message>
    <message>
        <source>E-mail:</source>
        <translation>Adresse électronique :</translation>
    </message>
    <message>
        <source>name@example.org</source>
        <translation>nom@exemple.fr</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Langue de l'interface :</translation>
    </message>
    <message>
        <source>System default</source>
        <translation>Valeur par défaut du système</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>German</source>
        <translation>Allemand</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Français</translation>
    </message>
    <message>
        <source>Startup</source>
        <translation>Au démarrage</translation>
    </message>
    <message>
        <source>Restore open windows</source>
        <translation>Rouvrir les fenêtres ouvertes précédemment</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Rechercher automatiquement les mises à jour</translation>
    </message>
    <message>
        <source>Defaults</source>
        <translation>Valeurs par défaut</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Appliquer</translation>
    </message>
</context>
</TS>
