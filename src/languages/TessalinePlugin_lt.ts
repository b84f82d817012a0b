<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="lt" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Atsisiunčiama priklausomybė %1 iš %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Blykstė</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatinis</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Išjungta</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Raudonos akys</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Papildoma</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Baltos spalvos balansas</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Saulės šviesa</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Debesuota</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Kaitrinė lempa</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Fluorescencinė lempa</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrastas</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sodrumas</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Ryškinimas</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Padėtis</translation>
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
        <translation>Fotografavimas</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Paveikslėliai</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Prisijungiama prie %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Prisijungti prie %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Naudotojo vardas</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Slaptažodis</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Prisiminti mane</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Prisijungiama</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Prisijungti</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Atšaukti</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portalai</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Pasirinkite aktyvų „Zemrik“ portalą</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Jūsų „Zemrik“ portalo URL</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Nepaisyti SSL klaidų</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Pridėti portalą</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>„Quillform“ reikia, kad „Portal for Zemrik 10.3.1“ būtų sukonfigūruotas su nuomojamu serveriu ir „Zemrik Data Store“</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Šiuo URL portalo nėra</translation>
    </message>
</context>
</TS>
