<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_PT" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>A transferir a dependência %1 de %2<byte value="xd"/>
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
        <translation>Desligado</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Olhos vermelhos</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Enchimento</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Equilíbrio de brancos</translation>
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
        <translation>Tungsténio</translation>
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
        <translation>Saturação</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Nitidez</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientação</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Câmara</translation>
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
        <translation>Imagens</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>A iniciar sessão em %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Iniciar sessão em %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nome de utilizador</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Palavra-passe</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Memorizar</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>A iniciar sessão</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Iniciar sessão</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portais</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Selecione o seu portal Zemrik ativo</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL do seu portal para Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignorar erros de SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Adicionar portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>O Quillform requer que o Portal for Zemrik 10.3.1 esteja configurado com um servidor alojado e o Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Não existe nenhum portal neste URL</translation>
    </message>
</context>
</TS>
