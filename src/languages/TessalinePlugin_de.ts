<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Abhängigkeit %1 von %2 wird heruntergeladen<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Blitz</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Rote Augen</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Aufhellen</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Weißabgleich</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Sonnenlicht</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Bewölkt</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Glühlampe</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Leuchtstofflampe</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Schärfung</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Ausrichtung</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Aufnahme</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Anmeldung bei %1 läuft</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Bei %1 anmelden</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Benutzernamen merken</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Anmeldung läuft</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portale</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Wählen Sie Ihr aktives Zemrik-Portal aus</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL Ihres Portals für Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>SSL-Fehler ignorieren</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Portal hinzufügen</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform setzt voraus, dass Portal for Zemrik 10.3.1 mit einem gehosteten Server und Zemrik Data Store konfiguriert ist</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Unter dieser URL gibt es kein Portal</translation>
    </message>
</context>
</TS>
