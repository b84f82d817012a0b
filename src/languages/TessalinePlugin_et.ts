<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="et" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Sõltuvuse %1/%2 allalaadimine<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Välk</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automaatne</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Väljas</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Punasilmsus</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Täitevälk</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Valge tasakaal</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Päikesevalgus</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Pilves</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Hõõglamp</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Luminofoorlamp</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Küllastus</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Teravustamine</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Suund</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kaamera</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Pildistamine</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Pildid</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Sisselogimine portaali %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Logi sisse portaali %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Kasutajanimi</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Parool</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Jäta mind meelde</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Sisselogimine</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Logi sisse</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Tühista</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portaalid</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Vali oma aktiivne Zemriku portaal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Sinu Zemriku portaali URL</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignoreeri SSL-i vigu</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Lisa portaal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform nõuab, et Portal for Zemrik 10.3.1 oleks seadistatud majutatud serveri ja Zemrik Data Store&apos;iga</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Sellel URL-il pole portaali</translation>
    </message>
</context>
</TS>
