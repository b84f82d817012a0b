<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="da" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Henter afhængighed %1 af %2<byte value="xd"/>
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
        <translation>Auto</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Fra</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Røde øjne</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Udfyldning</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Hvidbalance</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Sollys</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Overskyet</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Glødelampe</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Lysstofrør</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Mætning</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Skarphed</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Retning</translation>
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
        <translation>Tag billede</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Billeder</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Logger på %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Log på %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Brugernavn</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Adgangskode</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Husk mig</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Logger på</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Log på</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuller</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portaler</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Vælg din aktive Zemrik-portal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL til din portal til Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorer SSL-fejl</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Tilføj portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform kræver, at Portal for Zemrik 10.3.1 er konfigureret med en hostet server og Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Der er ingen portal på denne URL-adresse</translation>
    </message>
</context>
</TS>
