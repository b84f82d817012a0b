<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nb_NO" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Laster ned avhengighet %1 av %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Blits</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Av</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Røde øyne</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Utfylling</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Hvitbalanse</translation>
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
        <translation>Lysrør</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Metning</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Skarphet</translation>
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
        <translation>Ta bilde</translation>
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
        <translation>Logger på %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Logg på %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Brukernavn</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passord</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Husk meg</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Logger på</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Logg på</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Avbryt</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portaler</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Velg din aktive Zemrik-portal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL til portalen din for Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorer SSL-feil</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Legg til portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform krever at Portal for Zemrik 10.3.1 er konfigurert med en driftet server og Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Det finnes ingen portal på denne URL-adressen</translation>
    </message>
</context>
</TS>
