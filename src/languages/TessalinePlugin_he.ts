<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>מוריד תלות %1 מתוך %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>מבזק</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>אוטומטי</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>כבוי</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>עיניים אדומות</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>מילוי</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>איזון לבן</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>אור שמש</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>מעונן</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>טונגסטן</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>פלורסנט</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>ניגודיות</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>רוויה</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>חידוד</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>כיוון</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>מצלמה</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>צילום</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>תמונות</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>מתבצעת כניסה אל %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>כניסה אל %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>שם משתמש</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>סיסמה</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>זכור אותי</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>מתבצעת כניסה</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>כניסה</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>ביטול</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>פורטלים</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>בחר את פורטל Zemrik הפעיל שלך</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>כתובת URL של הפורטל שלך עבור Zemrik</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>התעלם משגיאות SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>הוסף פורטל</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform דורש ש-Portal for Zemrik 10.3.1 יוגדר עם שרת מתארח ו-Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>אין פורטל בכתובת URL זו</translation>
    </message>
</context>
</TS>
