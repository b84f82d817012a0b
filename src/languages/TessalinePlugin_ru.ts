<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Загрузка зависимости %1 из %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Вспышка</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Авто</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Выкл.</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Красные глаза</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Заполняющая</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Баланс белого</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Солнечный свет</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Облачно</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Лампа накаливания</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Флуоресцентная лампа</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Контрастность</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Насыщенность</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Резкость</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Ориентация</translation>
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
        <translation>Съёмка</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Изображения</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Выполняется вход в %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Вход в %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Имя пользователя</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Пароль</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Запомнить меня</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Выполняется вход</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Войти</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Порталы</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Выберите активный портал Zemrik</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL вашего портала для Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Игнорировать ошибки SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Добавить портал</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Для Quillform требуется, чтобы Portal for Zemrik 10.3.1 был настроен с размещённым сервером и хранилищем Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>По этому URL портал не найден</translation>
    </message>
</context>
</TS>
