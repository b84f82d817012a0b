<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Downloading dependency %1 of %2<byte value="xd"/>
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
        <translation>Auto</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Off</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Red Eye</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Fill</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>White Balance</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Sunlight</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Cloudy</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Tungsten</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Fluorescent</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contrast</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Saturation</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Sharpening</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Orientation</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Camera</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Capture</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Images</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Signing in to %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Sign in to %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Username</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Remember me</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Signing In</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Sign In</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Portals</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Select your active Zemrik Portal</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL of your Portal for Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Ignore SSL Errors</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Add Portal</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>There is no portal at this URL</translation>
    </message>
</context>
</TS>
