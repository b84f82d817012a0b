<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ro" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Se descarcă dependența %1 din %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Bliț</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automat</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Oprit</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Ochi roșii</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Umplere</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Balans de alb</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Lumina soarelui</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Înnorat</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Tungsten</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Fluorescent</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturație</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Claritate</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientare</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Cameră</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Captură</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Imagini</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Se conectează la %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Conectare la %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nume de utilizator</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Parolă</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Ține-mă minte</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Se conectează</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Conectare</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anulare</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portaluri</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Selectați portalul Zemrik activ</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL-ul portalului dvs. pentru Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignoră erorile SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Adăugare portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform necesită ca Portal for Zemrik 10.3.1 să fie configurat cu un server găzduit și Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Nu există niciun portal la acest URL</translation>
    </message>
</context>
</TS>
