<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="tr" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Bağımlılık indiriliyor: %1/%2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Flaş</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Otomatik</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Kapalı</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Kırmızı göz</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Dolgu</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Beyaz dengesi</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Güneş ışığı</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Bulutlu</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Tungsten</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Floresan</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Karşıtlık</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Doygunluk</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Keskinleştirme</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Yönlendirme</translation>
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
        <translation>Çekim</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Görüntüler</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>%1 oturumu açılıyor</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>%1 oturumu aç</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Kullanıcı adı</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Parola</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Beni anımsa</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Oturum açılıyor</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Oturum aç</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>İptal</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portallar</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Etkin Zemrik portalınızı seçin</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Zemrik portalınızın URL’si</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>SSL hatalarını yok say</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Portal ekle</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform, Portal for Zemrik 10.3.1’in barındırılan bir sunucu ve Zemrik Data Store ile yapılandırılmış olmasını gerektirir</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Bu URL’de portal yok</translation>
    </message>
</context>
</TS>
