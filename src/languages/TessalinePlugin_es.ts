<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Descargando la dependencia %1 de %2<byte value="xd"/>
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
        <translation>Automático</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Desactivado</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Ojos rojos</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Relleno</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Balance de blancos</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Luz solar</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Nublado</translation>
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
        <translation>Contraste</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturación</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Nitidez</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientación</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Cámara</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Captura</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Imágenes</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Iniciando sesión en %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Iniciar sesión en %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Recordarme</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Iniciando sesión</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Iniciar sesión</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portales</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Seleccione su portal activo de Zemrik</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL de su portal para Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Omitir errores de SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Agregar portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform requiere que Portal for Zemrik 10.3.1 esté configurado con un servidor alojado y Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>No hay ningún portal en esta URL</translation>
    </message>
</context>
</TS>
