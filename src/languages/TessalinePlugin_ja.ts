<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>依存アイテムをダウンロードしています (%1/%2)<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>フラッシュ</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>赤目軽減</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>補助光</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>ホワイト バランス</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>太陽光</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>曇り</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>白熱灯</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>蛍光灯</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>コントラスト</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>彩度</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>シャープネス</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>向き</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>カメラ</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>撮影</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>画像</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>%1 にサイン インしています</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>%1 にサイン イン</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>ユーザー名</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>ユーザー名を保存</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>サイン インしています</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>サイン イン</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>ポータル</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>使用する Zemrik ポータルを選択してください</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Zemrik 用ポータルの URL</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>SSL エラーを無視</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>ポータルの追加</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform では、Portal for Zemrik 10.3.1 にホスト サーバーと Zemrik Data Store が構成されている必要があります</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>この URL にポータルはありません</translation>
    </message>
</context>
</TS>
