<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Afhankelijkheid %1 van %2 wordt gedownload<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Flits</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Uit</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Rode ogen</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Invulflits</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Witbalans</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Zonlicht</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Bewolkt</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Gloeilamp</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Tl-licht</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Verzadiging</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Verscherping</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Oriëntatie</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Camera</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Foto maken</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Afbeeldingen</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Aanmelden bij %1…</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Aanmelden bij %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Gebruikersnaam</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Wachtwoord</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Mij onthouden</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Bezig met aanmelden</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Aanmelden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portalen</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Selecteer uw actieve Zemrik-portaal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL van uw portaal voor Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>SSL-fouten negeren</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Portaal toevoegen</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform vereist dat Portal for Zemrik 10.3.1 is geconfigureerd met een gehoste server en Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Er is geen portal op deze URL</translation>
    </message>
</context>
</TS>
