<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="cs" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Stahování závislosti %1 z %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Blesk</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automaticky</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Vypnuto</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Červené oči</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Doplňkový</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Vyvážení bílé</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Sluneční světlo</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Zataženo</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Žárovka</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Zářivka</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Sytost</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Doostření</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientace</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Fotoaparát</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Pořízení snímku</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Obrázky</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Přihlašování k %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Přihlásit se k %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Uživatelské jméno</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Heslo</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Zapamatovat si mě</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Přihlašování</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Přihlásit se</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Zrušit</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portály</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Vyberte svůj aktivní portál Zemrik</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Adresa URL vašeho portálu pro Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorovat chyby SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Přidat portál</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform vyžaduje, aby byl Portal for Zemrik 10.3.1 nakonfigurován s hostovaným serverem a úložištěm Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Na této adrese URL není žádný portál</translation>
    </message>
</context>
</TS>
