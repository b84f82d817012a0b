<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="lv" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Lejupielādē atkarību %1 no %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Zibspuldze</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automātiski</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Izslēgts</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Sarkanās acis</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Papildgaisma</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Baltā balanss</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Saules gaisma</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Apmācies</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Kvēlspuldze</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Luminiscences spuldze</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrasts</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Piesātinājums</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Asums</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientācija</translation>
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
        <translation>Uzņemšana</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Attēli</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Notiek pierakstīšanās portālā %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Pierakstīties portālā %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Lietotājvārds</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Parole</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Atcerēties mani</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Notiek pierakstīšanās</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Pierakstīties</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Atcelt</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portāli</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Izvēlieties savu aktīvo Zemrik portālu</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Jūsu Zemrik portāla URL</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorēt SSL kļūdas</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Pievienot portālu</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform nepieciešams, lai Portal for Zemrik 10.3.1 būtu konfigurēts ar mitinātu serveri un Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Šajā URL nav portāla</translation>
    </message>
</context>
</TS>
