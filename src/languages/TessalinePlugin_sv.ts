<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sv" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Hämtar beroende %1 av %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Blixt</translation>
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
        <translation>Röda ögon</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Utfyllnad</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Vitbalans</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Solljus</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Molnigt</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Glödlampa</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Lysrör</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Mättnad</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Skärpa</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientering</translation>
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
        <translation>Ta bild</translation>
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
        <translation>Loggar in på %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Logga in på %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Användarnamn</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Lösenord</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Kom ihåg mig</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Loggar in</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Logga in</translation>
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
        <translation>Välj din aktiva Zemrik-portal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL till din portal för Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorera SSL-fel</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Lägg till portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform kräver att Portal for Zemrik 10.3.1 är konfigurerad med en värdbaserad server och Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Det finns ingen portal på den här webbadressen</translation>
    </message>
</context>
</TS>
