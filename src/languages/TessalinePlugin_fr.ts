<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Téléchargement de la dépendance %1 sur %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Flash</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Désactivé</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Yeux rouges</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Appoint</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Balance des blancs</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Lumière du soleil</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Nuageux</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Tungstène</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Fluorescent</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contraste</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturation</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Netteté</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientation</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Appareil photo</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Prise de vue</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Images</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Connexion à %1 en cours</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Se connecter à %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nom d’utilisateur</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Se souvenir de moi</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Connexion en cours</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portails</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Sélectionnez votre portail Zemrik actif</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL de votre portail pour Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorer les erreurs SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Ajouter un portail</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform nécessite que Portal for Zemrik 10.3.1 soit configuré avec un serveur hébergé et Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Il n’y a pas de portail à cette URL</translation>
    </message>
</context>
</TS>
