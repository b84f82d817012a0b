<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Pobieranie zależności %1 z %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Lampa błyskowa</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatycznie</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Wyłączona</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Czerwone oczy</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Doświetlanie</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Balans bieli</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Światło słoneczne</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Pochmurno</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Żarówka</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Świetlówka</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Nasycenie</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Wyostrzanie</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientacja</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Aparat</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Wykonaj zdjęcie</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Obrazy</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Logowanie do %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Zaloguj się do %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nazwa użytkownika</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Hasło</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Zapamiętaj mnie</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Logowanie</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Zaloguj się</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portale</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Wybierz aktywny portal Zemrik</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Adres URL Twojego portalu dla Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignoruj błędy SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Dodaj portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform wymaga, aby Portal for Zemrik 10.3.1 był skonfigurowany z hostowanym serwerem i magazynem Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Pod tym adresem URL nie ma portalu</translation>
    </message>
</context>
</TS>
