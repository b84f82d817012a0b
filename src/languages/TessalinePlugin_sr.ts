<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="sr" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Преузимање зависности %1 од %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Блиц</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Аутоматски</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Искључено</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Црвене очи</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Допунски</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Баланс беле</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Сунчева светлост</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Облачно</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Сијалица</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Флуоресцентно</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Контраст</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Засићеност</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Изоштравање</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Оријентација</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Камера</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Снимање</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Слике</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Пријављивање на %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Пријава на %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Корисничко име</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Лозинка</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Запамти ме</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Пријављивање</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Пријави се</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Откажи</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Портали</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Изаберите свој активни Zemrik портал</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL вашег портала за Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Занемари SSL грешке</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Додај портал</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform захтева да Portal for Zemrik 10.3.1 буде подешен са хостованим сервером и складиштем Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>На овој URL адреси нема портала</translation>
    </message>
</context>
</TS>
