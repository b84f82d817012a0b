<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Download della dipendenza %1 di %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Flash</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Automatico</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Disattivato</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Occhi rossi</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Riempimento</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Bilanciamento del bianco</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Luce solare</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Nuvoloso</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Tungsteno</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Fluorescente</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contrasto</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturazione</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Nitidezza</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientamento</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Fotocamera</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Acquisizione</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Immagini</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Accesso a %1 in corso</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Accedi a %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nome utente</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Ricordami</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Accesso in corso</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Accedi</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portali</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Seleziona il portale Zemrik attivo</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL del portale per Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignora errori SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Aggiungi portale</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform richiede che Portal for Zemrik 10.3.1 sia configurato con un server ospitato e Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Non è presente alcun portale a questo URL</translation>
    </message>
</context>
</TS>
