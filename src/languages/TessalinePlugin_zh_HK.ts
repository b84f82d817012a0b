<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_HK" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>正在下載相依項目 %1/%2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>閃光燈</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>關閉</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>紅眼</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>補光</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>白平衡</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>陽光</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>多雲</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>鎢絲燈</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>螢光燈</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>對比度</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>飽和度</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>銳化</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>相機</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>拍攝</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>圖像</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>正在登入 %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>登入 %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用戶名稱</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密碼</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>記住我</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>正在登入</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>登入</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>入口網站</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>選取你使用中的 Zemrik 入口網站</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>你的 Zemrik 入口網站的網址</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>略過 SSL 錯誤</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>新增入口網站</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform 要求 Portal for Zemrik 10.3.1 設有託管伺服器及 Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>此網址沒有入口網站</translation>
    </message>
</context>
</TS>
