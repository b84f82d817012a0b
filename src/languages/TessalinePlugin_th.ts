<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="th" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>กำลังดาวน์โหลดรายการที่ต้องใช้ %1 จาก %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>แฟลช</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>อัตโนมัติ</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>ปิด</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>ลดตาแดง</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>เติมแสง</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>สมดุลสีขาว</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>แสงแดด</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>มีเมฆมาก</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>ทังสเตน</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>ฟลูออเรสเซนต์</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>ความคมชัด</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>ความอิ่มตัวของสี</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>ความคมของภาพ</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>การวางแนว</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>กล้อง</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>ถ่ายภาพ</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>รูปภาพ</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>กำลังลงชื่อเข้าใช้ %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>ลงชื่อเข้าใช้ %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>ชื่อผู้ใช้</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>รหัสผ่าน</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>จดจำฉัน</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>กำลังลงชื่อเข้าใช้</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>ลงชื่อเข้าใช้</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>ยกเลิก</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>พอร์ทัล</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>เลือกพอร์ทัล Zemrik ที่คุณใช้งานอยู่</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL ของพอร์ทัลสำหรับ Zemrik ของคุณ</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>ละเว้นข้อผิดพลาด SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>เพิ่มพอร์ทัล</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform กำหนดให้ Portal for Zemrik 10.3.1 ต้องตั้งค่าร่วมกับเซิร์ฟเวอร์ที่โฮสต์ไว้และ Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>ไม่มีพอร์ทัลที่ URL นี้</translation>
    </message>
</context>
</TS>
