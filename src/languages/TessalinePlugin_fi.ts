<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fi" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Ladataan riippuvuutta %1/%2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Salama</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automaattinen</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Pois</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Punasilmäisyys</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Täytesalama</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Valkotasapaino</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Auringonvalo</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Pilvinen</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Hehkulamppu</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Loisteputki</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrasti</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Värikylläisyys</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Terävöinti</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Suunta</translation>
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
        <translation>Kuvan otto</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Kuvat</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Kirjaudutaan kohteeseen %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Kirjaudu kohteeseen %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Käyttäjätunnus</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Salasana</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Muista minut</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Kirjaudutaan</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Kirjaudu sisään</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Peruuta</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portaalit</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Valitse aktiivinen Zemrik-portaali</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Zemrik-portaalisi URL-osoite</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ohita SSL-virheet</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Lisää portaali</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform edellyttää, että Portal for Zemrik 10.3.1 on määritetty käyttämään isännöityä palvelinta ja Zemrik Data Storea</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Tässä URL-osoitteessa ei ole portaalia</translation>
    </message>
</context>
</TS>
