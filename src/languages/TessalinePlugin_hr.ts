<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="hr" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Preuzimanje ovisnosti %1 od %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Bljeskalica</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatski</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Isključeno</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Crvene oči</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Dopunska</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Ravnoteža bijele</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Sunčeva svjetlost</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Oblačno</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Žarulja</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Fluorescentno</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Zasićenost</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Izoštravanje</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orijentacija</translation>
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
        <translation>Snimanje</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Slike</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Prijava na %1 u tijeku</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Prijava na %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Korisničko ime</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Lozinka</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Zapamti me</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Prijava u tijeku</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Prijava</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Odustani</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portali</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Odaberite svoj aktivni Zemrik portal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL vašeg portala za Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Zanemari SSL pogreške</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Dodaj portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform zahtijeva da Portal for Zemrik 10.3.1 bude konfiguriran s poslužiteljem na hostingu i pohranom Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Na ovom URL-u nema portala</translation>
    </message>
</context>
</TS>
