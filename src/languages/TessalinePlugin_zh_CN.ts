<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>正在下载依赖项 %1/%2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>闪光灯</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>红眼</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>补光</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>白平衡</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>阳光</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>多云</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>钨丝灯</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>荧光灯</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>对比度</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>饱和度</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>锐化</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>相机</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>拍摄</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>图像</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>正在登录 %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>登录 %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>记住我</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>正在登录</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>门户</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>选择您的活动 Zemrik 门户</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>您的 Zemrik 门户的 URL</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>忽略 SSL 错误</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>添加门户</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform 要求 Portal for Zemrik 10.3.1 配置有托管服务器和 Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>此 URL 上没有门户</translation>
    </message>
</context>
</TS>
